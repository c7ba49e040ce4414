#include <gtest/gtest.h>
#include <kora/File.h>

#include <string>
#include <vector>

#include "tests/support/VirtualSlot.h"

namespace kora::test {

namespace {

using D = DirPath;
using F = FilePath;

template <class... Operations>
std::vector<int> slotsOf(Operations... operations) {
    return {virtualSlot(operations)...};
}

TEST(Slots, StandInTheOrderThatModulesCountOn) {
    const std::vector<int> slots = slotsOf(
        &D::DirDisplayGet, &D::DirStringGet, &D::DirStringSet, &D::DirExists, &D::DirReadOnly, &D::DirDelete,
        &D::DirCreate, &D::DirCompare, &D::DirInitExecutable, &D::DirInitAppData, &D::DirInitPublicData,
        &D::DirInitDocRoot, &D::DirInitStartIn, &D::DirInitOSBase, &D::DirInitTemporary, &D::DirInitNull, &D::DirIsNull,
        &D::DirFileFirst, &D::DirFileNext, &D::DirFileClose, &D::DirDialogOpen, &F::FileStringSet, &F::FileStringGet,
        &F::FileFullNameSet, &F::FileFullNameGet, &F::FileBaseNameSet, &F::FileBaseNameGet, &F::FileTypeSet,
        &F::FileTypeGet, &F::FileDisplayGet, &F::FileCompare, &F::GetDir,
        static_cast<bool (F::*)(DirPath&)>(&F::SetDir), static_cast<bool (F::*)(DirPath*)>(&F::SetDir),
        static_cast<bool (F::*)(const char*)>(&F::SetDir), &F::FileSet, &F::FileNullSet, &F::FileNullGet,
        &F::FileExists, &F::FileReadOnly, &F::FileDelete, &F::GetSize, &F::GetCreationTime, &F::GetModificationTime,
        &F::SetCreationTime, &F::FileReadString, &F::FileWriteString, &F::Run, &F::SetTempName, &F::FileDialogOpen,
        &F::FileDialogSaveAs, &F::FileCreatorGet, &F::FileCreatorSet, &F::FileGetErrorCause, &F::FileGetErrorCode);
    int expected = 0;
    for (const int slot : slots) EXPECT_EQ(slot, ++expected);
}

class Overridden : public FilePath {
public:
    bool DirStringSet(const char* text) override {
        asked += '<' + std::string(text) + '>';
        return FilePath::DirStringSet(text);
    }
    const char* FileBaseNameGet() override { return "other"; }
    bool FileTypeSet(const char* type) override {
        asked += '.' + std::string(type);
        return FilePath::FileTypeSet(type);
    }
    std::string asked;
};

TEST(Slots, AreWhatCompositesCall) {
    Overridden path;
    path.FileStringSet("c:\\dir\\name.txt");
    EXPECT_EQ(path.asked, "<c:\\dir>.txt");
    path.asked.clear();
    path.FileStringSet("plain");
    EXPECT_EQ(path.asked, "<>.");
    EXPECT_STREQ(path.FileStringGet(), "c:\\dir\\other");
    EXPECT_STREQ(path.FileFullNameGet(), "other");
    EXPECT_STREQ(path.FileDisplayGet(FileDisplayName), "Other");
    FilePath same("C:\\DIR\\OTHER");
    EXPECT_TRUE(path.FileCompare(&same));
    EXPECT_TRUE(same.FileCompare(&path));
    path.asked.clear();
    DirPath dir("d:\\x");
    EXPECT_TRUE(path.SetDir(&dir));
    EXPECT_EQ(path.asked, "<d:\\x>");
}

}  // namespace

}  // namespace kora::test

#include <kora/Str.h>
#include <kora/Tsk.h>

#include <gtest/gtest.h>

#include "platform/Platform.h"

namespace {

// A module with the library's own string table, in which 1279 is "Inch".
class UnitModule : public TskKoraModule {
public:
    explicit UnitModule(const char* name) : TskKoraModule(status, name, false, false) {}
    bool TskInitSuccessful() override { return takesPart; }

    bool takesPart = true;

private:
    static inline eTskKoraModule status{};
};

CString resource(TskKoraModule* module, int id) {
    char* text = StrRes(module, id);
    const CString copy = text ? text : "none";
    ::operator delete(text);
    return copy;
}

}  // namespace

TEST(StrRes, CopiesStringsOfTheModuleOfThatName) {
    UnitModule module("Units");
    EXPECT_EQ(resource(&module, 1279), "none") << "no handle yet";
    module.TskHandleSet(kora::platform::ownModule());
    EXPECT_EQ(resource(&module, 1279), "Inch");
    EXPECT_EQ(resource(&module, 1), "none");
    EXPECT_EQ(resource(nullptr, 1279), "none");
    UnitModule other("Units");
    EXPECT_EQ(resource(&other, 1279), "Inch") << "the first module of the name answers";
    module.takesPart = other.takesPart = false;
    EXPECT_EQ(resource(&module, 1279), "none");
}

#include <kora/File.h>
#include <kora/Par.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <typeinfo>

#include "core/VirtualSlots.h"
#include "strings/Guarded.h"
#include "strings/SizedText.h"

namespace {

constexpr char kNameChars[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/_";
constexpr char kNumberChars[] = "-0123456789ABCDEFH";
constexpr char kFileType[] = "txt";
constexpr char kFileFilter[] = "Text Files;txt";

/// An array that holds @p text, or null.
RamArray* arrayOf(const std::string& text) {
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) return nullptr;
    std::unique_ptr<RamArray> array(new (std::nothrow) RamArray);
    if (!array || !array->RamAllocate(static_cast<unsigned long>(text.size()))) return nullptr;
    std::size_t filled = 0;
    void* block;
    unsigned short size;
    for (unsigned short i = 0; filled < text.size() && array->RamGetBuffer(i, block, size); ++i) {
        std::memcpy(block, text.data() + filled, size);
        filled += size;
    }
    return filled == text.size() ? array.release() : nullptr;
}

}  // namespace

ParSource::ParSource(TskKoraModule*)
    : current('\0'),
      stmtEnd(true),
      fileEnd(true),
      pos(0),
      savedPos(0),
      maxPos(-1),
      data(nullptr),
      ownsData(false),
      length(0),
      stmtEndChar(';'),
      trackMax(false),
      keepControl(false),
      commentDepth(0),
      sawText(false),
      sawComment(false),
      aheadChars_{},
      aheadPos_{},
      aheadCount_(0),
      aheadEnded_(false),
      plainData_(false),
      answered_(0),
      cursorEnd_(0),
      commentStart_(-1),
      commentEnd_(-1),
      ownBlanksSkip_(nullptr) {
    ownBlanksSkip_ = kora::slotCode(*this, &ParSource::ParBlanksSkip);
    ParSource::ParCharSetInit(&srcNameChars, kNameChars, -1);
    ParSource::ParCharSetInit(&allChars, "", -1);
    ParSource::ParCharSetInit(&numChars, kNumberChars, -1);
}

ParSource::~ParSource() { ParSource::ParClose(); }

short ParSource::ParOpen(FilePath* file, bool ask, RamArray* text, ParMode mode, bool track, bool keep) {
    ParClose();
    RamArray* const opened = text ? text : file ? load(*file, ask) : nullptr;
    if (!opened) return -1;
    data = opened;
    ownsData = opened != text;
    plainData_ = typeid(*data) == typeid(RamArray);
    length = static_cast<std::int32_t>(
        std::clamp<std::int64_t>(data->RamGetTotalDataLength(), 0, std::numeric_limits<std::int32_t>::max()));
    trackMax = track;
    keepControl = keep;
    stmtEnd = false;
    fileEnd = false;
    maxPos = -1;
    stmtEndChar = mode == ParModeLine ? '\n' : ';';
    commentDepth = 0;
    sawComment = false;
    Seek(0);
    savedPos = 0;
    // After the first character was read, which so counts as no text: a first statement of that character and a
    // comment is none.
    sawText = false;
    return 0;
}

RamArray* ParSource::load(FilePath& file, bool ask) {
    if (ask || *file.FileBaseNameGet() == '\0') {
        file.FileTypeSet(kFileType);
        if (!file.FileDialogOpen("", kFileFilter)) return nullptr;
    }
    RamArray* array = nullptr;
    kora::guarded([&] {
        std::string text;
        if (file.FileReadString(text)) array = arrayOf(text);
    });
    return array;
}

void ParSource::ParClose() {
    if (ownsData) delete data;
    data = nullptr;
    ownsData = false;
    length = 0;
    pos = 0;
    savedPos = 0;
    current = '\0';
    stmtEnd = true;
    fileEnd = true;
    commentStart_ = -1;
    lookaheadClear();
}

void ParSource::ParCharSetInit(ParCharSet* set, const char* chars, short max) {
    *set = {{}, true};
    for (const char c : kora::sizedText(chars, max)) {
        set->all = false;
        const auto code = static_cast<unsigned char>(c);
        if (code < 128) set->bits[code / 16] = static_cast<std::uint16_t>(set->bits[code / 16] | 1U << code % 16);
    }
}

ParCharSet* ParSource::ParCharsNumGet() { return &numChars; }

ParCharSet* ParSource::ParCharsSrcNameGet() { return &srcNameChars; }

ParCharSet* ParSource::ParCharsAllGet() { return &allChars; }

void ParSource::GetBlock(long from, long to, CString& out) {
    const auto begin = static_cast<std::int32_t>(std::clamp<std::int64_t>(from, 0, length));
    const auto end = std::max(begin, static_cast<std::int32_t>(std::clamp<std::int64_t>(to, 0, length)));
    out.clear();
    const bool whole = kora::guarded([&] {
        out.reserve(static_cast<std::size_t>(end - begin));
        for (std::int32_t at = begin; at < end;) {
            const Cursor text = ahead(at);
            const auto count = std::min<std::ptrdiff_t>(text.end - text.at, end - at);
            out.append(reinterpret_cast<const char*>(text.at), static_cast<std::size_t>(count));
            at += static_cast<std::int32_t>(count);
        }
    });
    if (!whole) out.clear();
}

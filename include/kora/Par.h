#pragma once

#include <kora/Kora.h>
#include <kora/Ram.h>

class FilePath;
class TskKoraModule;

typedef std::int64_t int64;

enum ParMode : std::int32_t { ParModeSemicolon = 0, ParModeLine = 1 };

struct ParCharSet {
    std::uint16_t bits[8];
    bool all;
};

class KORA_API ParSource {
public:
    explicit ParSource(TskKoraModule*);
    virtual ~ParSource();
    ParSource(const ParSource&) = delete;
    ParSource& operator=(const ParSource&) = delete;

    virtual short ParOpen(FilePath* file, bool ask, RamArray* data, ParMode mode, bool trackMax, bool keepControl);
    virtual void ParClose();
    virtual void ParCharSetInit(ParCharSet*, const char* chars, short max);
    virtual void ParCharNextEscape();
    virtual void ParCharNext();
    virtual char ParCharCurrent();
    virtual bool ParStmtEnd();
    virtual bool ParFileEnd();
    virtual void ParStmtNext();
    virtual long GetPos();
    virtual void Seek(long);
    virtual void ParBackspace();
    virtual void ParBlanksSkip();
    virtual bool ParToken(char* buffer, ParCharSet set, short max);
    virtual bool ParShort(short*);
    virtual bool ParLong(long*);
    virtual bool ParInt64(int64*);
    virtual bool ParCompare(const char* text);
    virtual ParCharSet* ParCharsNumGet();
    virtual ParCharSet* ParCharsSrcNameGet();
    virtual ParCharSet* ParCharsAllGet();
    void GetBlock(long from, long to, CString& out);
};

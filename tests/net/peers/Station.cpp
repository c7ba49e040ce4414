#include <kora/Ini.h>
#include <kora/Net.h>
#include <kora/Tmr.h>
#include <kora/Tsk.h>

#include <cstdio>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>

// A station for the test of real peers: joins a group as any host would and does what its first argument says.
namespace {

constexpr int kStations = 3;

/// Joins its group, hears what is said there, and ends when it has what it wants. It speaks by the clock, again and
/// again: what is sent before everybody listens, or while an interface comes up, is lost.
class Station : public NetPeer, private TmrTimer {
public:
    Station() : TmrTimer(TmrTypeTimed, OwnedElsewhere()) { TmrIntervalSet(50); }
    int run(const std::string& group) {
        check("adapter", NetIsAvailable());
        if (!over_) check("registration", NetGroupNameAdd(group.c_str()));
        while (!over_ || (code_ == 0 && sending_ > 0)) {
            TskMessagePump();
            Idle(0);
            TskGetApp()->TskAppWait();
        }
        NetGroupNameDelete();
        return code_;
    }

protected:
    virtual void speak() = 0;
    virtual void heard(std::string_view text) = 0;

    void say(std::string text) {
        check("send", NetDatagramSend(text.data(), static_cast<short>(text.size())));
        ++sending_;
    }
    void check(const char* what, int code) {
        if (code == 0) return;
        std::printf("%s: %d\n", what, code);
        end(1);
    }
    void end(int code = 0) {
        over_ = true;
        code_ = code;
        TskQuitRequest();  // wakes the loop
    }
    void NetDatagramSendResult(unsigned short code, void*, short) override {
        check("sent", code);
        --sending_;
    }

private:
    void NetGroupNameAddResult(unsigned short code) override {
        check("registered", code);
        TmrStart();
    }
    bool TmrExpiry() override {
        speak();
        TmrStart();
        return false;
    }
    void NetDatagramReceive(unsigned short code, void* data, short length) override {
        check("received", code);
        if (!over_) heard({static_cast<const char*>(data), static_cast<std::size_t>(length)});
    }

    bool over_ = false;
    int code_ = 0, sending_ = 0;
};

/// All stations send in turn, each once it has everything before, so that a datagram acknowledges those before it: two
/// at most may overtake another one, and whatever else is not expected, or never comes, ends the test.
class Exchange : public Station {
public:
    Exchange(int number, int count) : number_(number), count_(count) {}

private:
    /// Text @p k of the exchange; every length from 0 to 500 comes up.
    static std::string textOf(int k) {
        std::mt19937 random(static_cast<unsigned>(k));
        std::string text(random() % 501, '\0');
        for (char& c : text) c = static_cast<char>(random());
        return text;
    }
    void speak() override {
        if (next_ == 0) say("station " + std::to_string(number_));
    }
    void heard(std::string_view text) override {
        if (text.starts_with("station ")) {
            if (present_.insert(std::string(text)).second && present_.size() == kStations && number_ == 0)
                say(textOf(0));
            return;
        }
        int k = next_;
        while (ahead_.count(k) > 0 || text != textOf(k))
            if (++k == next_ + kStations) return check("something else came instead of number", next_ + 1);
        bytes_ += text.size();
        for (ahead_.insert(k); ahead_.erase(next_) > 0; ++next_)
            if ((next_ + 1) % kStations == number_ && next_ + 1 < count_) say(textOf(next_ + 1));
        if (next_ < count_) return;
        std::printf("station %d: %d datagrams, %zu bytes\n", number_, next_, bytes_);
        end();
    }

    const int number_, count_;
    int next_ = 0;
    std::size_t bytes_ = 0;
    std::set<std::string> present_;
    std::set<int> ahead_;
};

/// Says something often, answers "ask", and ends once it hears a text that it waits for; the first and the last where
/// there is one. That it can send no more, or again, it tells whoever started it, and goes on.
class Talk : public Station {
public:
    Talk(std::string often, std::string until) : often_(std::move(often)), until_(std::move(until)) {}

private:
    void speak() override {
        if (!often_.empty()) say(often_);
    }
    void heard(std::string_view text) override {
        if (text == "ask") say("answer");
        if (!until_.empty() && text.find(until_) != text.npos) end();
    }
    void NetDatagramSendResult(unsigned short code, void* data, short length) override {
        if (std::exchange(sendCode_, code) != code) std::printf("sends with code %d\n", code);
        std::fflush(stdout);
        Station::NetDatagramSendResult(0, data, length);
    }

    const std::string often_, until_;
    unsigned short sendCode_ = 0;
};

/// Registers a name for one station alone, which NetPeer has no operation for, and says how that ended.
int registerUnique(std::string name) {
    name.resize(16, ' ');
    NetNcb block = {};
    block.ncb_command = 0x30;
    name.copy(reinterpret_cast<char*>(block.ncb_name), sizeof block.ncb_name);
    std::printf("code %d\n", NetDriverSet(nullptr)(&block));
    return 0;
}

}  // namespace

// station exchange PROFILE NAME NUMBER COUNT
// station talk PROFILE NAME OFTEN UNTIL
// station unique PROFILE NAME '' ''
int main(int count, char** arguments) {
    if (count != 6 || !IniMainFileSet(arguments[2])) return 2;
    const std::string what = arguments[1], name = arguments[3], first = arguments[4], second = arguments[5];
    Startup(nullptr, nullptr);
    const int code = what == "unique"     ? registerUnique(name)
                     : what == "exchange" ? Exchange(std::stoi(first), std::stoi(second)).run(name)
                                          : Talk(first, second).run(name);
    ExitInstance();
    return code;
}

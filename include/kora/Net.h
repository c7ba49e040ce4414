#pragma once

#include <kora/Kora.h>

/// @file
/// Short messages between the stations of a local network: a module registers a NetBIOS group name, sends datagrams to
/// everybody who has registered the same one, and is told of those that arrive.
///
/// On Windows the system's NetBIOS does the work. Elsewhere the library's own driver speaks NetBIOS over UDP as a
/// broadcast node (RFC 1001 and 1002), so that stations of both kinds meet. It takes its settings from section
/// "NetBIOS" of the main profile, with each command that comes while no name is registered and nothing is under way:
///
/// - `Interface`: the network interface's name; by default the first one that can broadcast
/// - `Broadcast`: the address that broadcasts go to; by default the interface's own
/// - `NamePort`: the UDP port of the name service; by default 137
/// - `DatagramPort`: the UDP port of the datagram service; by default 138
/// - `Scope`: the NetBIOS scope, since only stations of the same one see each other; by default none
///
/// Ports below 1024 take a privilege on most systems; the loopback with ports of its own (Interface `lo`, Broadcast
/// 127.255.255.255) takes none. All of this belongs to the user-interface thread. The driver is that of one process: a
/// child that was forked once it runs has to start another program.

class NetPeer;

namespace kora {
struct NetCompletion;
struct NetStatusPage;
}  // namespace kora

/// The network control block, in the published layout: 64 bytes where pointers have 32 bits. Who issues one keeps it
/// and its buffer where they are until it has completed.
struct NetNcb {
    unsigned char ncb_command;       ///< what to do; 0x80 is added for an asynchronous command
    unsigned char ncb_retcode;       ///< the return code; 255 while an asynchronous command is under way
    unsigned char ncb_lsn;           ///< the local session number
    unsigned char ncb_num;           ///< the number of a registered name
    unsigned char* ncb_buffer;       ///< the data
    unsigned short ncb_length;       ///< the data's length in bytes; of a receive, the buffer's and then the data's
    unsigned char ncb_callname[16];  ///< the remote name, padded with blanks
    unsigned char ncb_name[16];      ///< the local name, padded with blanks
    unsigned char ncb_rto;           ///< the receive time-out, in half seconds
    unsigned char ncb_sto;           ///< the send time-out, in half seconds
    void (*ncb_post)(NetNcb*);       ///< called once an asynchronous command has completed, on a thread of the driver's
    unsigned char ncb_lana_num;      ///< the adapter's number
    unsigned char ncb_cmd_cplt;      ///< as ncb_retcode
    unsigned char ncb_reserve[sizeof(void*) == 8 ? 18 : 10];  ///< the driver's own
    void* ncb_event;                                          ///< a system event instead of the post routine
};

/// Executes a network control block. A synchronous command is done when it returns; for an asynchronous one 0 means
/// that it was taken, and that the post routine is called once when it has completed. Any other answer refuses it, and
/// the post routine is not called.
typedef unsigned char (*NetDriver)(NetNcb*);
/// Puts @p driver in place of the platform's and answers the one before; null restores the platform's. Commands that
/// are under way stay with the driver that took them.
KORA_API NetDriver NetDriverSet(NetDriver driver);

/// What a NetBIOS object has done so far; each counts 16 bits around.
struct NetCounters {
    unsigned short wrappersAllocated;   ///< commands begun
    unsigned short wrappersFreed;       ///< commands ended
    unsigned short blocksAllocated;     ///< memory blocks, for wrappers and for data
    unsigned short allocationFailures;  ///< blocks that could not be had
    unsigned short blocksFreed;         ///< blocks given back
    unsigned short datagramsSent;       ///< sends issued
    unsigned short sendCompletions;     ///< sends completed
    unsigned short lastSendCode;        ///< the return code of the last one
    unsigned short receivesPosted;      ///< receives issued, again after each datagram
    unsigned short receiveCompletions;  ///< receives completed
    unsigned short lastReceiveCode;     ///< the return code of the last one
};

/// Drives network control blocks for one group name and keeps count of them. Modules use NetPeer, which has one of
/// these; it can be derived from where its notifications are wanted without one.
///
/// Blocks and their buffers are allocated for each command and freed when it has completed. An object may go while
/// commands are under way, in a notification too: their completions find nobody then and free what they hold. It does
/// not release its group name: GroupNameDelete() does, and so does the library's exit.
///
/// Every code is a return code of the driver, or one of the library's own: 4096 without a callback window, 4097
/// without a post routine, 4099 when memory ran out, 4100 when a name is registered, 65535 for a datagram or a name
/// that there is not. MapError() has words for them.
///
/// The order of declaration is the order of slots: new operations go at the end.
class KORA_API NetBIOS {
public:
    /// @param instance the handle of the module whose the status window is.
    explicit NetBIOS(unsigned long instance);
    virtual ~NetBIOS();
    NetBIOS(const NetBIOS&) = delete;
    NetBIOS& operator=(const NetBIOS&) = delete;

    virtual const char* MapError(unsigned short code);              ///< see NetPeer::NetMapError()
    virtual void StatusShow();                                      ///< see NetPeer::NetStatusDialog()
    virtual unsigned short AdapterFind();                           ///< see NetPeer::NetIsAvailable()
    virtual const char* GroupNameGet();                             ///< see NetPeer::NetGroupNameGet()
    virtual unsigned short GroupNameAdd(const char* name);          ///< see NetPeer::NetGroupNameAdd()
    virtual unsigned short GroupNameDelete();                       ///< see NetPeer::NetGroupNameDelete()
    virtual unsigned short DatagramSend(void* data, short length);  ///< see NetPeer::NetDatagramSend()

    /// The notifications; they do nothing by default. The data is there during the call alone.
    virtual void GroupNameAdded(unsigned short code);
    /// See NetPeer::NetDatagramSendResult().
    virtual void DatagramSent(unsigned short code, void* data, short length);
    /// See NetPeer::NetDatagramReceive().
    virtual void DatagramReceived(unsigned short code, void* data, short length);

    /// The lines of the status window, one below the other and each ended by a line feed: the counters, then what each
    /// adapter answered when StatusShow() asked last.
    virtual CString StatusText();
    virtual const NetCounters& CountersGet();  ///< what the object has done so far

protected:
    short adapter;                    ///< the adapter's number; -1 until one has been found
    void (*postRoutine)(NetNcb*);     ///< given to asynchronous commands; posts the callback message and nothing else
    unsigned long callbackWindow;     ///< receives the callback message, 7490; a handle on Windows
    char groupName[17];               ///< 16 characters and a NUL; the first is 0 while no name is registered
    unsigned char nameNumber;         ///< what the adapter calls the group name
    NetCounters counters;             ///< what CountersGet() answers
    unsigned char* adapterStatus[2];  ///< what adapters 0 and 1 answered; 348 bytes each, null before the first use
    NetPeer* owner;                   ///< who is notified

private:
    friend class NetPeer;
    friend struct kora::NetCompletion;
    friend struct kora::NetStatusPage;

    void commandFill(NetNcb& block, unsigned char code) const;
    void statusRefresh(short number);
};

/// The NetBIOS object of a NetPeer: hands its notifications on.
class KORA_API OurNetBIOS : public NetBIOS {
public:
    explicit OurNetBIOS(unsigned long instance);        ///< @param instance as for NetBIOS
    void GroupNameAdded(unsigned short code) override;  ///< calls NetPeer::NetGroupNameAddResult()
    /// Calls NetPeer::NetDatagramSendResult().
    void DatagramSent(unsigned short code, void* data, short length) override;
    /// Calls NetPeer::NetDatagramReceive().
    void DatagramReceived(unsigned short code, void* data, short length) override;
};

/// A station among those that have registered the same group name. A module derives from it, overrides the three
/// notifications and says NetIsAvailable(), NetGroupNameAdd() and then NetDatagramSend():
///
///     class Chat : public NetPeer {
///         void NetGroupNameAddResult(unsigned short code) override { if (code == 0) NetDatagramSend(hello, 5); }
///         void NetDatagramReceive(unsigned short code, void* data, short length) override { ... }
///     };
///
/// Commands go out at once; how they ended comes as notifications, which TskMessagePump() calls. A station hears its
/// own datagrams too. A notification may issue commands and may delete the station.
///
/// The order of declaration is the order of slots: new operations go at the end.
class KORA_API NetPeer {
public:
    NetPeer();
    /// Commands that are under way end without a notification. The group name stays registered until the library's
    /// exit or until it is added again; NetGroupNameDelete() releases it.
    virtual ~NetPeer();
    NetPeer(const NetPeer&) = delete;
    NetPeer& operator=(const NetPeer&) = delete;

    /// Looks for an adapter among numbers 0 to 3, unless one is known. The other operations do not look for one.
    /// @return 0 when an adapter is known; 4096, 4097 or 4099; otherwise what the last command of the search returned,
    /// which is 0 too when the last adapter answered and is none.
    virtual unsigned short NetIsAvailable();
    /// Begins to register a group name: at most 16 characters, padded with blanks, of any bytes but NUL; null is the
    /// empty name. The outcome comes to NetGroupNameAddResult(). A name that this program has registered already is
    /// released first and registered anew: an earlier peer that has it hears nothing any more, its receives end with
    /// code 23 and its sends with 19.
    /// @return 0 when the command was taken; 4100 when a name is registered; 4099; otherwise the driver's code.
    virtual unsigned short NetGroupNameAdd(const char* name);
    /// Begins to release the group name, which is forgotten at once; receives end with code 23.
    /// @return 0 when the command was taken; 65535 when no name is registered; 4099; otherwise the driver's code.
    virtual unsigned short NetGroupNameDelete();
    /// The registered name: 16 characters, padded with blanks; the first is NUL when there is none.
    virtual const char* NetGroupNameGet();
    /// Begins to send a copy of @p length bytes, 500 at most, to all stations of the group.
    /// @return 0 when the command was taken; 65535 for a length below 0 or above 500, null data with a length, and when
    ///         memory ran out; otherwise the driver's code.
    virtual unsigned short NetDatagramSend(void* data, short length);
    /// Words for a code; "unknown" for one that has none.
    virtual const char* NetMapError(unsigned short code);
    /// Asks adapters 0 and 1 for their status and shows it beneath the counters, in a window; where there are no
    /// windows the presenter is told the text (MsgPresenter::Alert(), as information).
    virtual void NetStatusDialog();

    /// Notifications. They do nothing by default; the data is there during the call alone.
    /// The registration ended: 0, and datagrams arrive from now on; or why it failed.
    virtual void NetGroupNameAddResult(unsigned short code);
    /// A datagram has been sent, or why not.
    virtual void NetDatagramSendResult(unsigned short code, void* data, short length);
    /// A datagram has arrived, or a receive ended for another reason. After codes 15, 19, 21, 23 and 36 that receive is
    /// over; two were posted when the name was registered.
    virtual void NetDatagramReceive(unsigned short code, void* data, short length);

    /// The lines of the status window; see NetBIOS::StatusText(). Empty without memory.
    virtual CString NetStatusText();
    /// The object that does the work; null when there was no memory for it.
    virtual NetBIOS* NetBIOSGet();

private:
    OurNetBIOS* netBIOS_;
};

/// The station's name, at most 31 characters: entry ComputerName of section "network" of system.ini in the Windows
/// directory (/etc on POSIX); else the computer's name in the registry, on Windows; else the environment variable
/// QZSTATION; else "unknown". Looked up once.
KORA_API const char* UtlNetworkStationName();

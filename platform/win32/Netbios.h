#pragma once

struct NetNcb;

namespace kora::platform {

/// Netbios() of NETAPI32.DLL. The post routine of a block that goes there is __stdcall, and not what its type says.
using SystemNetbios = unsigned char(__stdcall*)(NetNcb*);

/// For tests: puts @p replacement in its place and answers the one before; null stands for a system without it. Nothing
/// may be under way.
SystemNetbios systemNetbiosSet(SystemNetbios replacement);

}  // namespace kora::platform

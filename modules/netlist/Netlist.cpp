#include "Netlist.h"

namespace netlist {

NetId Model::net(const CString& netName) {
    const auto [place, isNew] = byName_.try_emplace(netName, nets.size());
    if (isNew) nets.push_back({netName});
    return place->second;
}

const Net* Model::find(const CString& netName) const {
    const auto place = byName_.find(netName);
    return place != byName_.end() ? &nets[place->second] : nullptr;
}

long Model::drive(NetId net, long line) {
    long& drivenIn = nets[net].drivenIn;
    if (drivenIn != 0) return drivenIn;
    drivenIn = line;
    return 0;
}

NetId Model::feed(NetId net) {
    ++nets[net].fanOut;
    return net;
}

}  // namespace netlist

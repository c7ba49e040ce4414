#include "Netlist.h"

namespace netlist {

NetId Model::net(const CString& netName) {
    const auto [place, isNew] = byName_.try_emplace(netName, nets.size());
    if (isNew) nets.emplace_back().name = netName;
    return place->second;
}

const Net* Model::find(const CString& netName) const {
    const auto place = byName_.find(netName);
    return place != byName_.end() ? &nets[place->second] : nullptr;
}

long Model::drive(NetId net, Driver driver) {
    Driver& present = nets[net].driver;
    if (present.kind != Driver::none) return present.line;
    present = driver;
    return 0;
}

NetId Model::feed(NetId net) {
    ++nets[net].fanOut;
    return net;
}

}  // namespace netlist

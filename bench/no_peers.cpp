// For the program that is built for a system without the peers.
#include "rows.h"

namespace bench {

std::function<void()> PeerCall(const std::string& /*row*/, const Scene& /*scene*/, Block /*block*/) {
    return {};
}

} // namespace bench

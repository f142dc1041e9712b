// Received ICMP packets: the first byte chooses how the rest is read.
#include "platform/ping/IcmpPacket.h"

#include <cstdlib>

namespace {

bool lies(std::span<const unsigned char> part, std::span<const unsigned char> whole)
{
    return part.empty()
        || (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto family = data[0] & 1 ? icmp::Family::V6 : icmp::Family::V4;
    const auto framing = data[0] & 2 ? icmp::Framing::WithIpHeader : icmp::Framing::IcmpOnly;
    const std::span packet(data + 1, size - 1);
    const icmp::Received found = icmp::readReceived(family, framing, packet);
    const std::size_t address = family == icmp::Family::V4 ? 4 : 16;
    if (!lies(found.payload, packet) || !lies(found.destination, packet))
        std::abort();
    if (found.kind == icmp::Received::Error && found.destination.size() != address)
        std::abort();
    icmp::readQuotedRequest(family, packet);
    icmp::checksum(packet);
    return *icmp::errorText(family, found.type, found.code) == '\0' ? std::abort(), 0 : 0;
}

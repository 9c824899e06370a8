#include "linux/network/MappedAddress.h"

namespace {

struct MappedAddress {
    GNetworkAddress parent;
    GSocketConnectable* target;
};

using MappedAddressClass = GNetworkAddressClass;

void implementConnectable(GSocketConnectableIface* interface) {
    interface->enumerate = [](GSocketConnectable* self) {
        return g_socket_connectable_enumerate(reinterpret_cast<MappedAddress*>(self)->target);
    };
    // A target named by hand is reached directly, whatever proxy the system names.
    interface->proxy_enumerate = nullptr;
}

G_DEFINE_TYPE_WITH_CODE(MappedAddress, kestrin_mapped_address, G_TYPE_NETWORK_ADDRESS,
                        G_IMPLEMENT_INTERFACE(G_TYPE_SOCKET_CONNECTABLE, implementConnectable))

void kestrin_mapped_address_init(MappedAddress*) {}

void kestrin_mapped_address_class_init(MappedAddressClass* type) {
    G_OBJECT_CLASS(type)->finalize = [](GObject* object) {
        g_object_unref(reinterpret_cast<MappedAddress*>(object)->target);
        G_OBJECT_CLASS(kestrin_mapped_address_parent_class)->finalize(object);
    };
}

} // namespace

namespace kestrin::gtk {

GRef<GSocketConnectable> makeMappedAddress(const std::string& host, const HostMap::Target& target) {
    auto* address = static_cast<MappedAddress*>(g_object_new(kestrin_mapped_address_get_type(), "hostname",
                                                             host.c_str(), "port", target.port, nullptr));
    address->target = g_network_address_new(target.address.c_str(), target.port);
    return GRef<GSocketConnectable>::adopt(G_SOCKET_CONNECTABLE(address));
}

} // namespace kestrin::gtk

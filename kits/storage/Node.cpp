// node_ref: the number of a node on its device.

#include <Node.h>

#include <tuple>

node_ref::node_ref()
    : device(static_cast<dev_t>(-1)), node(static_cast<ino_t>(-1))
{
}

node_ref::node_ref(dev_t device, ino_t node)
    : device(device), node(node)
{
}

node_ref::node_ref(const node_ref& other) = default;

bool node_ref::operator==(const node_ref& other) const
{
    return device == other.device && node == other.node;
}

bool node_ref::operator!=(const node_ref& other) const
{
    return !(*this == other);
}

bool node_ref::operator<(const node_ref& other) const
{
    return std::tie(device, node) < std::tie(other.device, other.node);
}

node_ref& node_ref::operator=(const node_ref& other) = default;

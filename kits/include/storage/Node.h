#ifndef _NODE_H
#define _NODE_H

#include <Statable.h>
#include <SupportDefs.h>

// Names a node (a file, directory or link itself, whatever its entries are called).
struct node_ref {
    node_ref();
    node_ref(dev_t device, ino_t node);
    node_ref(const node_ref& other);
    bool operator==(const node_ref& other) const;
    bool operator!=(const node_ref& other) const;
    bool operator<(const node_ref& other) const;
    node_ref& operator=(const node_ref& other);
    dev_t device;
    ino_t node;
};

#endif  // _NODE_H

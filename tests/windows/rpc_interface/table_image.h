// A copy of an interface's tables that tests can alter. It has everything that is reachable from
// the descriptor, with pointers to the copies, and a list of all its values. A walker must notice
// the alteration of each value, because otherwise nothing checks that value.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_IMAGE_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_IMAGE_H

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "rpc_interface/table_layouts.h"

namespace PlenxTest {

enum class Role { kClient, kServer };

class TableImage {
public:
    struct Field {
        std::string name;
        unsigned char* place;
        std::size_t size;
        TableKind kind;
    };

    TableImage(Role role, const void* descriptor);
    TableImage(const TableImage&) = delete;
    TableImage& operator=(const TableImage&) = delete;

    const void* Interface() const { return interface_; }
    const std::vector<Field>& Fields() const { return fields_; }

private:
    unsigned char* Copy(TableKind kind, const unsigned char* original);

    std::vector<std::unique_ptr<unsigned char[]>> blocks_;
    std::map<const void*, unsigned char*> copies_;
    std::vector<Field> fields_;
    const void* interface_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_TABLE_IMAGE_H

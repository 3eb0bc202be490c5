#include "rpc_interface/table_image.h"

#include <cstring>

namespace PlenxTest {
namespace {

// Zeros follow every copy, so a reader that takes one table for a larger one finds null pointers.
constexpr std::size_t kTail = 160;

}  // namespace

TableImage::TableImage(Role role, const void* descriptor)
    : interface_(Copy(role == Role::kClient ? kClientInterface : kServerInterface,
                      static_cast<const unsigned char*>(descriptor))) {}

unsigned char* TableImage::Copy(TableKind kind, const unsigned char* original) {
    const auto known = copies_.find(original);
    if (original == nullptr || known != copies_.end()) {
        return original == nullptr ? nullptr : known->second;
    }
    const TableLayout& layout = LayoutOf(kind);
    blocks_.push_back(std::make_unique<unsigned char[]>(layout.size + kTail));
    unsigned char* const block = blocks_.back().get();
    std::memcpy(block, original - layout.lead, layout.size);
    copies_[original] = block + layout.lead;

    for (const TableMember& member : layout.members) {
        unsigned char* const place = block + member.offset;
        fields_.push_back(
            {std::string(layout.name) + ", " + member.name + " at " + std::to_string(member.offset),
             place, member.size, member.kind});
        if (member.kind != kValue && member.kind != kOpaque) {
            const unsigned char* target = nullptr;
            std::memcpy(&target, place, sizeof(target));
            unsigned char* const copy = Copy(member.kind, target);
            std::memcpy(place, &copy, sizeof(copy));
        }
    }
    return copies_[original];
}

}  // namespace PlenxTest

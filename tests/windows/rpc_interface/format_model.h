// Reads a procedure's format from either transfer syntax into one model, and computes the bytes
// that travel on the wire. Reading stays inside the formats even when a test has altered them; a
// format that makes no sense throws FormatError.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FORMAT_MODEL_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FORMAT_MODEL_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace PlenxTest {

class FormatError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class Shape { kLong, kErrorStatus, kLongPointer, kArray, kArrayPointerPointer };

struct Parameter {
    bool in = false;
    bool out = false;
    bool result = false;
    Shape shape = Shape::kLong;
    std::uint32_t offset = 0;  // on the stack
    // For an array: the place of its size, and whether that place holds a pointer to the size.
    std::uint32_t sizeOffset = 0;
    bool sizeBehindPointer = false;
};

struct Procedure {
    std::uint32_t stackSize = 0;
    std::vector<Parameter> parameters;
};

Procedure ReadNdr20(const unsigned char* procString, const unsigned char* typeString);
Procedure ReadNdr64(const void* procedureFragment);

/// Returns for example "in long @0; in byte[@8] @16; return error_status_t @40; stack 48".
std::string Signature(const Procedure& procedure);

/// One argument of a call. It is a number, or bytes that may be absent.
struct Argument {
    Shape shape;
    std::int32_t number = 0;
    std::optional<std::vector<std::uint8_t>> bytes = std::nullopt;
};
using Stack = std::map<std::uint32_t, Argument>;

enum class Direction { kRequest, kResponse };

/// The transfer syntaxes differ in these widths.
struct WireRules {
    std::size_t count;  // of an array's count
    std::size_t id;     // of a pointer's referent id
};
constexpr WireRules kNdr20Wire{4, 4};
constexpr WireRules kNdr64Wire{8, 8};

/// Returns the stub data, with padding 0 and referent id 0x20000.
std::vector<std::uint8_t> Marshal(const Procedure& procedure, const WireRules& rules,
                                  Direction direction, const Stack& stack);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FORMAT_MODEL_H

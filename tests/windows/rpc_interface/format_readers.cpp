// The two readers of the formats: NDR 2.0 strings and NDR64 fragments.

#include <windows.h>

#include <rpc.h>
#include <rpcndr.h>

#include <ndr64types.h>

#include <cstring>

#include "rpc_interface/format_model.h"
#include "rpc_interface/table_layouts.h"

namespace PlenxTest {
namespace {

constexpr std::size_t kMostParameters = 15;

void Require(bool condition, const char* what) {
    if (!condition) {
        throw FormatError(what);
    }
}

class FormatString {
public:
    FormatString(const unsigned char* bytes, std::size_t size) : bytes_(bytes), size_(size) {
        Require(bytes != nullptr, "no string");
    }
    unsigned Byte(std::size_t offset) const {
        Require(offset < size_, "outside the string");
        return bytes_[offset];
    }
    unsigned Short(std::size_t offset) const { return Byte(offset) | Byte(offset + 1) << 8; }

private:
    const unsigned char* bytes_;
    std::size_t size_;
};

// NDR 2.0

class Ndr20Reader {
public:
    Ndr20Reader(const unsigned char* procString, const unsigned char* typeString)
        : procedure_(procString, kProcStringSize), types_(typeString, kTypeStringSize) {}

    Procedure Read() {
        Require(procedure_.Byte(0) == 0x32, "not an implicit primitive handle");
        Require(procedure_.Byte(1) == 0x48, "other interpreter flags");
        Require((procedure_.Byte(14) & 0x40) != 0, "no extensions");
        const std::size_t extensions = procedure_.Byte(16);
        newCorrelation_ = (procedure_.Byte(17) & 0x01) != 0;

        Procedure procedure;
        procedure.stackSize = procedure_.Short(8);
        const std::size_t count = procedure_.Byte(15);
        Require(count <= kMostParameters, "too many parameters");
        for (std::size_t i = 0; i < count; ++i) {
            procedure.parameters.push_back(ReadParameter(16 + extensions + 6 * i));
        }
        return procedure;
    }

private:
    Parameter ReadParameter(std::size_t at) {
        const unsigned attributes = procedure_.Short(at);
        Parameter parameter;
        parameter.in = (attributes & 0x08) != 0;
        parameter.out = (attributes & 0x10) != 0;
        parameter.result = (attributes & 0x20) != 0;
        parameter.offset = procedure_.Short(at + 2);
        if ((attributes & 0x40) != 0) {
            ReadBaseType(procedure_.Byte(at + 4), (attributes & 0x100) != 0, parameter);
        } else {
            ReadType(procedure_.Short(at + 4), parameter);
        }
        return parameter;
    }

    static void ReadBaseType(unsigned code, bool simpleRef, Parameter& parameter) {
        Require(code == 0x08 || (code == 0x10 && !simpleRef), "another base type");
        parameter.shape = code == 0x10 ? Shape::kErrorStatus
                          : simpleRef  ? Shape::kLongPointer
                                       : Shape::kLong;
    }

    void ReadType(std::size_t at, Parameter& parameter) {
        if (types_.Byte(at) == 0x11) {
            Require(types_.Byte(at + 1) == 0x14, "another ref pointer");
            const std::size_t unique = Target(at);
            Require(types_.Byte(unique) == 0x12 && types_.Byte(unique + 1) == 0x20,
                    "not a unique pointer");
            parameter.shape = Shape::kArrayPointerPointer;
            ReadArray(Target(unique), parameter);
        } else {
            parameter.shape = Shape::kArray;
            ReadArray(at, parameter);
        }
    }

    std::size_t Target(std::size_t pointer) const {
        return pointer + 2 + types_.Short(pointer + 2);
    }

    void ReadArray(std::size_t at, Parameter& parameter) {
        Require(types_.Byte(at) == 0x1b && types_.Byte(at + 1) == 0, "not a conformant array");
        Require(types_.Short(at + 2) == 1, "elements of another size");
        Require(types_.Byte(at + 4) == 0x28, "its size is not a top-level long");
        const unsigned operation = types_.Byte(at + 5);
        Require(operation == 0 || operation == 0x54, "another operator");
        parameter.sizeBehindPointer = operation == 0x54;
        parameter.sizeOffset = types_.Short(at + 6);
        const std::size_t element = at + (newCorrelation_ ? 10 : 8);
        Require(types_.Byte(element) == 0x01 && types_.Byte(element + 1) == 0x5b,
                "elements of another type");
    }

    FormatString procedure_;
    FormatString types_;
    bool newCorrelation_ = false;
};

// NDR64

unsigned CodeOf(const void* fragment) {
    Require(fragment != nullptr, "no fragment");
    return *static_cast<const unsigned char*>(fragment);
}

template <typename Fragment>
const Fragment& FragmentOf(const void* fragment, unsigned code) {
    Require(CodeOf(fragment) == code, "another fragment");
    return *static_cast<const Fragment*>(fragment);
}

void ReadSize(const void* expression, Parameter& parameter) {
    Require(expression != nullptr, "no size");
    // The word before the expression says where the size stands, and is not part of the expression.
    const auto* const start = static_cast<const unsigned char*>(expression) + 4;
    const unsigned char* variableAt = start;
    if (*start == 0x04) {
        const auto& operation = *reinterpret_cast<const NDR64_EXPR_OPERATOR*>(start);
        Require(operation.Operator == 0x05 && operation.CastType == 0x05, "another operator");
        parameter.sizeBehindPointer = true;
        variableAt += sizeof(operation);
    }
    const auto& variable = FragmentOf<NDR64_EXPR_VAR>(variableAt, 0x03);
    Require(variable.VarType == (parameter.sizeBehindPointer ? 0x07 : 0x05), "another size");
    parameter.sizeOffset = variable.Offset;
}

void ReadArray(const void* fragment, Parameter& parameter) {
    const auto& array = FragmentOf<Ndr64Array>(fragment, 0x41);
    Require(array.header.ElementSize == 1 && array.element.ElementMemSize == 1,
            "elements of another size");
    Require(CodeOf(array.element.Element) == 0x02, "elements of another type");
    ReadSize(array.header.ConfDescriptor, parameter);
}

void ReadBaseType(const NDR64_PARAM_FORMAT& format, Parameter& parameter) {
    const unsigned code = CodeOf(format.Type);
    const bool simpleRef = format.Attributes.IsSimpleRef != 0;
    Require(code == 0x05 || (code == 0x13 && !simpleRef), "another base type");
    parameter.shape = code == 0x13 ? Shape::kErrorStatus
                      : simpleRef  ? Shape::kLongPointer
                                   : Shape::kLong;
}

Parameter ReadParameter(const NDR64_PARAM_FORMAT& format) {
    Parameter parameter;
    parameter.in = format.Attributes.IsIn != 0;
    parameter.out = format.Attributes.IsOut != 0;
    parameter.result = format.Attributes.IsReturn != 0;
    parameter.offset = format.StackOffset;
    if (format.Attributes.IsBasetype != 0) {
        ReadBaseType(format, parameter);
    } else if (CodeOf(format.Type) == 0x41) {
        parameter.shape = Shape::kArray;
        ReadArray(format.Type, parameter);
    } else {
        const auto& ref = FragmentOf<NDR64_POINTER_FORMAT>(format.Type, 0x20);
        const auto& unique = FragmentOf<NDR64_POINTER_FORMAT>(ref.Pointee, 0x21);
        parameter.shape = Shape::kArrayPointerPointer;
        ReadArray(unique.Pointee, parameter);
    }
    return parameter;
}

}  // namespace

Procedure ReadNdr20(const unsigned char* procString, const unsigned char* typeString) {
    return Ndr20Reader(procString, typeString).Read();
}

Procedure ReadNdr64(const void* procedureFragment) {
    Require(procedureFragment != nullptr, "no procedure");
    const auto& format = *static_cast<const Ndr64Procedure*>(procedureFragment);
    Require((format.procedure.Flags & 0x7) == 2, "not an implicit primitive handle");
    Require(format.procedure.ExtensionSize == 0, "extensions before the parameters");
    Require(format.procedure.NumberOfParams <= kMostParameters, "too many parameters");

    Procedure procedure;
    procedure.stackSize = format.procedure.StackSize;
    for (std::size_t i = 0; i < format.procedure.NumberOfParams; ++i) {
        procedure.parameters.push_back(ReadParameter(format.parameters[i]));
    }
    return procedure;
}

}  // namespace PlenxTest

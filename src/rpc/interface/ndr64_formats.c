/* The message procedure in NDR64. It consists of fragments that refer to each other by address. */

#include "rpc/interface/message_formats.h"

_Static_assert(sizeof(NDR64_PROC_FORMAT) == 24, "procedure");
_Static_assert(sizeof(NDR64_PARAM_FORMAT) == 16, "parameter");
_Static_assert(sizeof(NDR64_PARAM_FLAGS) == 2, "parameter attributes");
_Static_assert(sizeof(NDR64_CONF_ARRAY_HEADER_FORMAT) == 16, "array header");
_Static_assert(sizeof(NDR64_ARRAY_ELEMENT_INFO) == 16, "array element");
_Static_assert(sizeof(NDR64_POINTER_FORMAT) == 16, "pointer");
_Static_assert(sizeof(NDR64_EXPR_VAR) == 8, "variable of an expression");
_Static_assert(sizeof(NDR64_EXPR_OPERATOR) == 4, "operator of an expression");

/* Format codes. */
enum {
    CODE_INT8 = 0x02,
    CODE_INT32 = 0x05,
    CODE_INT64 = 0x07,
    CODE_ERROR_STATUS = 0x13,
    CODE_REF_POINTER = 0x20,
    CODE_UNIQUE_POINTER = 0x21,
    CODE_CONFORMANT_ARRAY = 0x41,
};

/* Flags of a pointer. */
enum {
    POINTER_ALLOCATED_ON_STACK = 0x04,
    POINTER_DEREFERENCED = 0x10,
    POINTER_MAY_BE_NULL_WITH_SIZE_IS = 0x20,
};

/* Parts of an expression. */
enum {
    EXPRESSION_VARIABLE = 0x03,
    EXPRESSION_OPERATOR = 0x04,
    OPERATOR_INDIRECTION = 0x05,
};

/* The first word of an expression when the size stands before the array. */
enum { EARLY = 1 };

/* Base types: one byte each. */

static const NDR64_FORMAT_CHAR int8Type = CODE_INT8;
static const NDR64_FORMAT_CHAR int32Type = CODE_INT32;
static const NDR64_FORMAT_CHAR errorStatusType = CODE_ERROR_STATUS;

/* Sizes of arrays. */

/* msgSize */
static const struct {
    NDR64_UINT32 order;
    NDR64_EXPR_VAR variable;
} msgSizeExpression = {
    EARLY,
    {.ExprType = EXPRESSION_VARIABLE, .VarType = CODE_INT32, .Offset = PLENX_STACK_MSG_SIZE},
};
_Static_assert(sizeof(msgSizeExpression) == 12, "msgSize");

/* *respSize: the variable is the pointer itself, which is address-sized and points to a long. */
static const struct {
    NDR64_UINT32 order;
    NDR64_EXPR_OPERATOR indirection;
    NDR64_EXPR_VAR variable;
} respSizeExpression = {
    EARLY,
    {.ExprType = EXPRESSION_OPERATOR, .Operator = OPERATOR_INDIRECTION, .CastType = CODE_INT32},
    {.ExprType = EXPRESSION_VARIABLE, .VarType = CODE_INT64, .Offset = PLENX_STACK_RESP_SIZE},
};
_Static_assert(sizeof(respSizeExpression) == 16, "*respSize");

/* Arrays and the pointers to them. */

typedef struct {
    NDR64_CONF_ARRAY_HEADER_FORMAT header;
    NDR64_ARRAY_ELEMENT_INFO element;
} ConformantArray;
_Static_assert(sizeof(ConformantArray) == 32, "array");

/* byte msg[], size_is(msgSize) */
static const ConformantArray msgArray = {
    {.FormatCode = CODE_CONFORMANT_ARRAY, .ElementSize = 1, .ConfDescriptor = &msgSizeExpression},
    {.ElementMemSize = 1, .Element = &int8Type},
};

/* byte [], size_is(*respSize) */
static const ConformantArray respArray = {
    {.FormatCode = CODE_CONFORMANT_ARRAY, .ElementSize = 1, .ConfDescriptor = &respSizeExpression},
    {.ElementMemSize = 1, .Element = &int8Type},
};

/* byte* */
static const NDR64_POINTER_FORMAT respUniquePointer = {
    .FormatCode = CODE_UNIQUE_POINTER,
    .Flags = POINTER_MAY_BE_NULL_WITH_SIZE_IS,
    .Pointee = &respArray,
};

/* byte** resp */
static const NDR64_POINTER_FORMAT respRefPointer = {
    .FormatCode = CODE_REF_POINTER,
    .Flags = POINTER_ALLOCATED_ON_STACK | POINTER_DEREFERENCED, /* 0x14 */
    .Pointee = &respUniquePointer,
};

/* The procedure and its parameters. The implicit handle needs no extension between them. */

enum {
    PROC_IMPLICIT_PRIMITIVE_HANDLE = 2,
    PROC_INTERPRETED = 1 << 6,
    PROC_SERVER_MUST_SIZE = 1 << 17,
    PROC_CLIENT_MUST_SIZE = 1 << 18,
    PROC_HAS_RETURN = 1 << 19,
    PROC_SERVER_HAS_CORRELATION = 1 << 21,
    PROC_CLIENT_HAS_CORRELATION = 1 << 22,

    PROC_FLAGS = PROC_IMPLICIT_PRIMITIVE_HANDLE | PROC_INTERPRETED | PROC_SERVER_MUST_SIZE |
                 PROC_CLIENT_MUST_SIZE | PROC_HAS_RETURN | PROC_SERVER_HAS_CORRELATION |
                 PROC_CLIENT_HAS_CORRELATION,
};
_Static_assert(PROC_FLAGS == 0x006e0042, "flags of the procedure");

/* clang-format off */
static const struct {
    NDR64_PROC_FORMAT procedure;
    NDR64_PARAM_FORMAT msgType;
    NDR64_PARAM_FORMAT msgSize;
    NDR64_PARAM_FORMAT msg;
    NDR64_PARAM_FORMAT respSize;
    NDR64_PARAM_FORMAT resp;
    NDR64_PARAM_FORMAT result;
} messageProcedure = {
    .procedure = {
        .Flags = PROC_FLAGS,
        .StackSize = PLENX_STACK_SIZE,
        .ConstantClientBufferSize = 16, /* 8 for each [in] long */
        .ConstantServerBufferSize = 40, /* 32 for the [out] long*, 8 for the result */
        .NumberOfParams = 6,            /* with the result */
    },
    .msgType = {
        .Type = &int32Type,
        .Attributes = {.IsIn = 1, .IsBasetype = 1, .IsByValue = 1}, /* 0x00c8 */
        .StackOffset = PLENX_STACK_MSG_TYPE,
    },
    .msgSize = {
        .Type = &int32Type,
        .Attributes = {.IsIn = 1, .IsBasetype = 1, .IsByValue = 1}, /* 0x00c8 */
        .StackOffset = PLENX_STACK_MSG_SIZE,
    },
    .msg = {
        .Type = &msgArray,
        .Attributes = {.MustSize = 1, .MustFree = 1, .IsIn = 1}, /* 0x000b */
        .StackOffset = PLENX_STACK_MSG,
    },
    .respSize = {
        .Type = &int32Type, /* the type that a simple ref points to, not a pointer */
        .Attributes = {.IsOut = 1, .IsBasetype = 1, .IsSimpleRef = 1, .UseCache = 1}, /* 0x8150 */
        .StackOffset = PLENX_STACK_RESP_SIZE,
    },
    .resp = {
        .Type = &respRefPointer,
        .Attributes = {.MustSize = 1, .MustFree = 1, .IsOut = 1, .UseCache = 1}, /* 0x8013 */
        .StackOffset = PLENX_STACK_RESP,
    },
    .result = {
        .Type = &errorStatusType,
        .Attributes = {.IsOut = 1, .IsReturn = 1, .IsBasetype = 1, .IsByValue = 1}, /* 0x00f0 */
        .StackOffset = PLENX_STACK_RESULT,
    },
};
/* clang-format on */
_Static_assert(sizeof(messageProcedure) == 120, "procedure with its parameters");

const FormatInfoRef plenxNdr64ProcTable[1] = {&messageProcedure};

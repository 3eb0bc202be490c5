/* The message procedure in NDR 2.0. It consists of a string of types and a string of procedures,
 * which refers to the types by their offset. Two-byte numbers are little-endian.
 *
 * The extension flags of the procedure determine the rest: with the new correlation descriptors a
 * size descriptor takes 6 bytes, without them 4. */

#include "rpc/interface/message_formats.h"

/* clang-format off */
const PlenxNdr20TypeString plenxNdr20TypeString = {0, {
    /*  0 */ 0x00, 0x00,

    /*  2: byte msg[], size_is(msgSize) */
    0x1b, 0x00, /* conformant array, alignment 0 */
    0x01, 0x00, /* element size 1 */
    0x28, 0x00, /* its size is a top-level parameter of type long, no operator */
    0x08, 0x00, /* at stack offset 8, msgSize */
    0x01, 0x00, /* early: the size stands before the array */
    0x01, 0x5b, /* byte; end */

    /* 14: long*, emitted for respSize but referred to by nothing */
    0x11, 0x0c, /* ref pointer to a simple type */
    0x08, 0x5c, /* long; pad */

    /* 18: byte** resp */
    0x11, 0x14, /* ref pointer, allocated on the stack, to be dereferenced */
    0x02, 0x00, /* to the type at 20 + 2 */

    /* 22: byte* */
    0x12, 0x20, /* unique pointer, may be null with size_is */
    0x02, 0x00, /* to the type at 24 + 2 */

    /* 26: byte [], size_is(*respSize) */
    0x1b, 0x00, /* conformant array, alignment 0 */
    0x01, 0x00, /* element size 1 */
    0x28, 0x54, /* its size is a top-level parameter of type long, dereferenced */
    0x18, 0x00, /* at stack offset 24, respSize */
    0x01, 0x00, /* early */
    0x01, 0x5b, /* byte; end */

    /* 38 */ 0x00,
}};

const PlenxNdr20ProcString plenxNdr20ProcString = {0, {
    /*  0: the procedure */
    0x32,                   /* implicit primitive handle */
    0x48,                   /* RPC flags word present, new initialization routines */
    0x00, 0x00, 0x00, 0x00, /* RPC flags */
    0x00, 0x00,             /* procedure number 0 */
    0x30, 0x00,             /* stack size 48 */
    0x10, 0x00,             /* constant client buffer 16: two longs, aligned */
    0x24, 0x00,             /* constant server buffer 36 */
    0x47,                   /* server sizes, client sizes, has return, has extensions */
    0x06,                   /* 6 parameters with the result */

    /* 16: its extensions */
    0x0a,       /* their size, 10 */
    0x07,       /* new correlation descriptors, client and server check correlation */
    0x01, 0x00, /* client correlation hint */
    0x01, 0x00, /* server correlation hint */
    0x00, 0x00, /* notify index */
    0x00, 0x00, /* float mask */

    /* Its parameters: attributes, stack offset, then a base type or the offset of a type. */
    /* 26: msgType */
    0x48, 0x00, 0x00, 0x00, /* in, base type; offset 0 */
    0x08, 0x00,             /* long */
    /* 32: msgSize */
    0x48, 0x00, 0x08, 0x00, /* in, base type; offset 8 */
    0x08, 0x00,             /* long */
    /* 38: msg */
    0x0b, 0x00, 0x10, 0x00, /* must size, must free, in; offset 16 */
    0x02, 0x00,             /* type at 2 */
    /* 44: respSize */
    0x50, 0x21, 0x18, 0x00, /* out, base type, simple ref, server allocates 8; offset 24 */
    0x08, 0x00,             /* long */
    /* 50: resp */
    0x13, 0x20, 0x20, 0x00, /* must size, must free, out, server allocates 8; offset 32 */
    0x12, 0x00,             /* type at 18 */
    /* 56: the result */
    0x70, 0x00, 0x28, 0x00, /* out, return, base type; offset 40 */
    0x10, 0x00,             /* error_status_t */

    /* 62 */ 0x00,
}};

const unsigned short plenxNdr20ProcOffsets[1] = {0};
/* clang-format on */

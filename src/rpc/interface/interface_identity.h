/* The two interfaces differ in these identities and in nothing else. */

#ifndef PLENXSDK_RPC_INTERFACE_INTERFACE_IDENTITY_H
#define PLENXSDK_RPC_INTERFACE_INTERFACE_IDENTITY_H

/* clang-format off */

/* RPC_SYNTAX_IDENTIFIER initializers: UUID, then major and minor version. */

/* a98584c0-5684-4bc3-909a-859ba3897425, 1.0 */
#define PLENX_SERVICE_INTERFACE_ID \
    {{0xa98584c0, 0x5684, 0x4bc3, {0x90, 0x9a, 0x85, 0x9b, 0xa3, 0x89, 0x74, 0x25}}, {1, 0}}

/* ec383975-d9bc-4258-9944-f92f13e32bbf, 1.0 */
#define PLENX_MANAGER_INTERFACE_ID \
    {{0xec383975, 0xd9bc, 0x4258, {0x99, 0x44, 0xf9, 0x2f, 0x13, 0xe3, 0x2b, 0xbf}}, {1, 0}}

/* Every description offers these transfer syntaxes, in this order. */

/* NDR 2.0: 8a885d04-1ceb-11c9-9fe8-08002b104860, 2.0 */
#define PLENX_NDR20_SYNTAX_ID \
    {{0x8a885d04, 0x1ceb, 0x11c9, {0x9f, 0xe8, 0x08, 0x00, 0x2b, 0x10, 0x48, 0x60}}, {2, 0}}

/* NDR64: 71710533-beba-4937-8319-b5dbef9ccc36, 1.0 */
#define PLENX_NDR64_SYNTAX_ID \
    {{0x71710533, 0xbeba, 0x4937, {0x83, 0x19, 0xb5, 0xdb, 0xef, 0x9c, 0xcc, 0x36}}, {1, 0}}

/* clang-format on */

#endif

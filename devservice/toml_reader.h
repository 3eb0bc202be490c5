// Includes the TOML library in the mode that throws exceptions for invalid TOML.

#ifndef PLENXSERVICE_TOML_READER_H
#define PLENXSERVICE_TOML_READER_H

#define TOML_EXCEPTIONS 1
#define TOML_ENABLE_FORMATTERS 1
#define TOML_ENABLE_WINDOWS_COMPAT 0
#include <toml++/toml.h>

#endif  // PLENXSERVICE_TOML_READER_H

// The TOML library as it is used here: with exceptions for what is no TOML.

#ifndef PLENXSERVICE_TOML_READER_H
#define PLENXSERVICE_TOML_READER_H

#define TOML_EXCEPTIONS 1
#define TOML_ENABLE_FORMATTERS 1
#define TOML_ENABLE_WINDOWS_COMPAT 0
#include <toml++/toml.h>

#endif  // PLENXSERVICE_TOML_READER_H

// The error that ends the program early, with exit code 1.

#ifndef PLENXKIT_TRACE_FILE_ERROR_H
#define PLENXKIT_TRACE_FILE_ERROR_H

#include <stdexcept>

namespace PlenxTrace {

/// A file cannot be read or written. The text names it.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_FILE_ERROR_H

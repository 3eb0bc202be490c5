// What ends the program early, with exit code 1.

#ifndef PLENXTRACE_FILE_ERROR_H
#define PLENXTRACE_FILE_ERROR_H

#include <stdexcept>

namespace PlenxTrace {

/// A file that cannot be read or written; the text names it.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace PlenxTrace

#endif  // PLENXTRACE_FILE_ERROR_H

#error "Visual C++ has no unistd.h"

#include "ending.h"

namespace PlenxKit {

int Concluded(const std::string& command, std::ostream& err, const std::function<int()>& run) {
    try {
        return run();
    } catch (const Refusal& refusal) {
        err << "plenxkit " << command << ": refused to begin: " << refusal.what() << "\n";
        return kRefused;
    } catch (const std::exception& error) {
        err << "plenxkit " << command << ": " << error.what() << "\n";
        return kWrongUsage;
    }
}

}  // namespace PlenxKit

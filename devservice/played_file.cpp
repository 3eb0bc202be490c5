#include "played_file.h"

namespace PlenxService {

Values PlayedFile::Life(Moment moment, const Part& part) const {
    Values values;
    for (const LifePart& life : said_.life) {
        if (life.moment == moment && part.Has(life.scope)) {
            values.Add(life.values);
        }
    }
    return values;
}

const Step* PlayedFile::StepFor(std::int32_t request, const Part& part) {
    const Step* first = nullptr;
    for (std::size_t i = 0; i != said_.steps.size(); ++i) {
        const Step& step = said_.steps[i];
        if (!part.Has(step.scope) || (step.request && *step.request != request)) {
            continue;
        }
        const std::int64_t before = seen_[i]++;
        if (!first && before >= step.skip && before - step.skip < step.times) {
            first = &step;
        }
    }
    return first;
}

}  // namespace PlenxService

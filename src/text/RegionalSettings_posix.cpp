#include "text/RegionalSettings.h"

namespace tolvane {

TRegionalSettings SystemRegionalSettings() {
    return {};
}

}  // namespace tolvane

#include "system/RegionalSettings.h"

namespace tolvane {

TRegionalSettings SystemRegionalSettings() {
    return {};
}

}  // namespace tolvane

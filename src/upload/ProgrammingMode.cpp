#include "upload/ProgrammingMode.h"

#include "text/Failure.h"

namespace tolvane {
namespace {

constexpr TMilliseconds kBeforeProgramming{500};
constexpr TMilliseconds kBeforeVersion{800};
constexpr TMilliseconds kBeforeWeighing{500};

}  // namespace

std::optional<TScaleVersion> TProgrammingMode::Enter() {
    if (stop_.IsAbandoned()) return std::nullopt;
    std::int32_t errCode = 0;
    scale_.SetWeightMode(errCode);
    clock_.Sleep(kBeforeProgramming);
    if (stop_.IsAbandoned()) return std::nullopt;
    if (!scale_.SetPrgMode(errCode)) throw TFailure(CommandError(scale_, "[SetPrgMode]", errCode));
    clock_.Sleep(kBeforeVersion);
    TScaleVersion version;
    if (!scale_.GetVersion(errCode, version.maxPlu, version.mode, version.text))
        throw TFailure(CommandError(scale_, "[GetVersion]", errCode));
    return version;
}

bool TProgrammingMode::Leave() {
    clock_.Sleep(kBeforeWeighing);
    std::int32_t errCode = 0;
    return scale_.SetWeightMode(errCode);
}

std::string CommandError(const TElicomScale& scale, std::string_view command,
                         std::int32_t errCode) {
    return std::string(command) + " ErrCode: " + std::to_string(errCode) + ", " + scale.LastError;
}

}  // namespace tolvane

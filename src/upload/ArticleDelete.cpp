#include "upload/ArticleDelete.h"

#include <string_view>

#include "upload/ArticleWriter.h"

namespace tolvane {
namespace {

constexpr std::int32_t kNameParameter = 0;
// One character with code 0; the driver pads it with spaces.
constexpr std::string_view kClearedName("\0", 1);

}  // namespace

bool DeleteArticle(TElicomScale& scale, std::int32_t plu, TDeleteForm form, std::int32_t& ErrCode) {
    const bool cleared = form == TDeleteForm::Listed ? scale.SetPrice(ErrCode, plu, 0.0)
                                                     : scale.SetPrice(ErrCode, plu, 0.0, 0.0);
    if (!cleared) FailCommand(scale, "[SetPrice]", ErrCode);
    return scale.SetParam(ErrCode, plu, kNameParameter, kClearedName, kCodeTableRaw);
}

}  // namespace tolvane

#include "articles/ArticleFields.h"

namespace tolvane {

std::optional<TField> FieldByName(std::string_view name) {
    for (const TFieldInfo& info : kFields)
        if (info.name == name) return info.field;
    return std::nullopt;
}

}  // namespace tolvane

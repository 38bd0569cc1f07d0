#include "Tarn/model/RuleDraft.h"

namespace tarn {

RenameRule RuleDraft::rule() const {
    switch (kind) {
        case 0:
            return {RenameRule::Replace{find, replace, regex, caseSensitive}};
        case 1:
            return {RenameRule::AddText{text, position}};
        case 2:
            return {RenameRule::Number{start, step, digits, position, separator}};
        case 3:
            return {RenameRule::InsertDate{dateSource, dateFormat, position, separator}};
        case 4:
            return {RenameRule::ChangeCase{caseStyle}};
        case 5:
            return {RenameRule::RemoveCharacters{text}};
        case 6:
            return {RenameRule::RemoveFirst{count}};
        default:
            return {RenameRule::RemoveLast{count}};
    }
}

bool RuleDraft::isBlank() const {
    switch (kind) {
        case 0:
            return find.empty();
        case 1:
        case 5:
            return text.empty();
        case 6:
        case 7:
            return count <= 0;
        default:
            return false;
    }
}

}  // namespace tarn

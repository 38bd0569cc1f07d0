#include "TarnCore/base/Error.h"

#include <cerrno>
#include <system_error>

namespace tarn {

std::string systemErrorSentence(int errnum) {
    switch (errnum) {
        case EACCES:
        case EPERM:
            return "You don’t have permission to do that.";
        case ENOENT:
            return "It doesn’t exist any more.";
        case ENOTDIR:
            return "It isn’t a folder.";
        case ENOSPC:
            return "The disk is full.";
        case EDQUOT:
            return "Your disk quota is used up.";
        case EROFS:
            return "The disk can’t be written to.";
        case EIO:
            return "The disk couldn’t be read.";
        case ELOOP:
            return "It is a link that leads back to itself.";
        case ENAMETOOLONG:
            return "The name is too long.";
        case EMFILE:
        case ENFILE:
            return "Too many files are open.";
        case ENOTCONN:
        case EHOSTDOWN:
        case ETIMEDOUT:
            return "The server isn’t responding.";
        case ESTALE:
            return "The server no longer knows it.";
        default:
            break;
    }
    std::string text = std::generic_category().message(errnum);
    if (text.empty() || text.back() != '.') text += '.';
    return text;
}

}  // namespace tarn

#include "engine/stream_headers.h"

#include "engine/title_decoder.h"

#include <cstring>

namespace BASS {

StreamHeaders parseStreamHeaders(const char* list) {
    StreamHeaders result;
    for (const char* line = list; line != nullptr && *line != '\0'; line += std::strlen(line) + 1) {
        const QString text = decodeText(QByteArray(line), {});
        const int colon = text.indexOf(QLatin1Char(':'));
        if (colon <= 0)
            continue;
        const QString name = text.left(colon).trimmed().toLower();
        const QString value = text.mid(colon + 1).trimmed();
        if (name == QLatin1String("icy-name"))
            result.name = value;
        else if (name == QLatin1String("icy-genre"))
            result.genre = value;
        else if (name == QLatin1String("icy-url"))
            result.website = value;
        else if (name == QLatin1String("icy-description"))
            result.description = value;
        else if (name == QLatin1String("content-type"))
            result.contentType = value;
        else if (name == QLatin1String("icy-br") || name == QLatin1String("ice-bitrate"))
            // some servers send a list, one value a quality
            result.bitrate = value.section(QLatin1Char(','), 0, 0).toInt();
    }
    return result;
}

} // namespace BASS

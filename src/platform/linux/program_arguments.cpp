#include "platform/program_arguments.h"

#include <QTextCodec>

namespace {
QString decoded(const char* text) {
    const QByteArray bytes(text);
    QTextCodec::ConverterState state;
    const QTextCodec* utf8 = QTextCodec::codecForName("UTF-8");
    const QString asUtf8 = utf8->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars == 0 && state.remainingChars == 0)
        return asUtf8;
    return QString::fromLocal8Bit(bytes);
}
} // namespace

QStringList programArguments(int argc, const char* const* argv) {
    QStringList arguments;
    arguments.reserve(argc);
    for (int i = 0; i < argc; ++i)
        arguments.append(decoded(argv[i]));
    return arguments;
}

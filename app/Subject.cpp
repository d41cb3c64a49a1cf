#include "app/Subject.h"

namespace {

constexpr int endingLength = 4; // ".crl"

} // namespace

std::filesystem::path subjectFile(const Subject &subject)
{
    return subject.path.toStdString();
}

Subject subjectAt(const QString &path)
{
    const QString file = path.section(QLatin1Char('/'), -1);
    return {path, file.chopped(qMin<qsizetype>(endingLength, file.size()))};
}

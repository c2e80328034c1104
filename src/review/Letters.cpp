#include "review/Letters.h"

namespace nimbrelle::Letters {

QString folded(const QString &text)
{
    return text.toLower().normalized(QString::NormalizationForm_C);
}

bool isSame(const QString &a, const QString &b)
{
    return a == b || folded(a) == folded(b);
}

QList<QStringList> splitAtBlanks(const QStringList &letters)
{
    QList<QStringList> pieces;
    bool isInside = false;
    for (const QString &letter : letters) {
        if (letter == blank) {
            isInside = false;
            continue;
        }
        if (!isInside)
            pieces.append(QStringList());
        pieces.last().append(letter);
        isInside = true;
    }
    return pieces;
}

} // namespace nimbrelle::Letters

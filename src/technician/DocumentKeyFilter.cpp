#include "technician/DocumentKeyFilter.h"

namespace kelm::technician {

namespace {

constexpr QChar kSlash = u'/';

bool isPraticaKey(QChar key)
{
    return (key >= u'0' && key <= u'9') || key == u'-' || key == u' ' || key == u'\b';
}

} // namespace

std::optional<QChar> acceptedKey(DocumentBox box, QChar key)
{
    switch (box) {
    case DocumentBox::FreeText:
        // A "/" would close the record's field early.
        return key == kSlash ? QChar(u'\\') : key;
    case DocumentBox::Pratica:
        if (isPraticaKey(key))
            return key;
        return std::nullopt;
    case DocumentBox::Riferimento:
        if (key == kSlash)
            return std::nullopt;
        return key;
    }
    return std::nullopt;
}

} // namespace kelm::technician

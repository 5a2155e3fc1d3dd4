#include "hostlib/Error.h"

#include <utility>

namespace zul {

namespace {

QString classicDescription(RunTime number)
{
    switch (number) {
    case RunTime::InvalidCall:
        return QStringLiteral("Invalid procedure call or argument");
    case RunTime::Overflow:
        return QStringLiteral("Overflow");
    case RunTime::SubscriptOutOfRange:
        return QStringLiteral("Subscript out of range");
    case RunTime::TypeMismatch:
        return QStringLiteral("Type mismatch");
    case RunTime::FileNotFound:
        return QStringLiteral("File not found");
    case RunTime::ObjectNotSet:
        return QStringLiteral("Object variable or With block variable not set");
    case RunTime::DuplicateKey:
        return QStringLiteral("This key is already associated with an element of this collection");
    }
    return QStringLiteral("Application-defined or object-defined error");
}

} // namespace

Error::Error(long number, QString description)
    : m_number(number)
    , m_description(std::move(description))
    , m_what(m_description.toUtf8())
{}

Error::Error(RunTime number)
    : Error(static_cast<long>(number), classicDescription(number))
{}

} // namespace zul

// The one error type of the house. It never crosses the boundary between host and component.
#pragma once

#include <QString>
#include <exception>

namespace zul {

/// The classic run-time error numbers, as they stand in the log.
enum class RunTime : long
{
    InvalidCall = 5,
    Overflow = 6,
    SubscriptOutOfRange = 9,
    TypeMismatch = 13,
    FileNotFound = 53,
    ObjectNotSet = 91,
    DuplicateKey = 457,
};

/// A failed step: a number (a classic run-time one, or the database provider's own) and a description.
class Error : public std::exception
{
public:
    Error(long number, QString description);
    /// A classic error with its classic description.
    explicit Error(RunTime number);

    long number() const noexcept { return m_number; }
    const QString& description() const noexcept { return m_description; }
    const char* what() const noexcept override { return m_what.constData(); }

private:
    long m_number;
    QString m_description;
    QByteArray m_what;
};

} // namespace zul

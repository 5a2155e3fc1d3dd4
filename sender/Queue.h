// The messages that wait in a database to be sent.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace zul::sender {
// One row of the queue, as it is shown. Texts that the database lacks are null.
struct QueuedMessage
{
    qint64 id = 0;
    QString kind;      // "SMS", "E-mail", "Notifica push", or the number of a kind that is none of them
    QString recipient; // a phone number or an e-mail address
    QString text;      // an SMS's own text, or the template's
    QString campaign;  // of an e-mail
    QString created;   // as the database keeps it
};

// The parameters of the program.
struct Parameters
{
    QString connectionString; // empty when the program was started without one
    bool list = false;        // write the queue to standard output and end
};

// Takes "-connectionstring:" with everything behind it, blanks included (what the shell cut apart is joined
// again), and "--list" in front of it.
Parameters readParameters(const QStringList& arguments);

// The file of "…;Data Source=FILE;…", in any case; empty when the text names none.
QString databaseFile(const QString& connectionString);

// Reads the queue in the order in which it will be sent; the database is not changed. Throws std::runtime_error
// with a text for the user.
std::vector<QueuedMessage> readQueue(const QString& databaseFile);

// A line for standard output: the fields, separated by tabs; a null text is NULL, and \ tab and line breaks are
// escaped.
QString queueLine(const QueuedMessage& message);
} // namespace zul::sender

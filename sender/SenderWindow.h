// The window of the stand-in sender.
#pragma once

#include "sender/QueueModel.h"

#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QLabel)

namespace zul::sender {
// Lists the queue of a database and sends nothing.
class SenderWindow : public QWidget
{
    Q_OBJECT

public:
    // Without a database's file the window says so and stays empty.
    explicit SenderWindow(const QString& databaseFile, QWidget* parent = nullptr);

    // Reads the queue again; what went wrong stands in the status line.
    void refresh();

private:
    QString m_file;
    QueueModel m_model;
    QLabel* m_status;
};
} // namespace zul::sender

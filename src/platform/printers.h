#pragma once

#include <QString>

#include <functional>

class QPrinter;

/// The printers of the computer.
class Printers
{
public:
    virtual ~Printers() = default;
    virtual int count() const = 0;

    /// Has `paint` begin and end a page on the default printer (the first one where none is the default) and hands it
    /// over as one job. Throws what `paint` throws, and when the printing system does not take the job.
    virtual void print(const QString& title, const std::function<void(QPrinter&)>& paint) = 0;
};

/// The installed printers: CUPS queues, or those of Windows.
class SystemPrinters : public Printers
{
public:
    int count() const override;
    void print(const QString& title, const std::function<void(QPrinter&)>& paint) override;
};

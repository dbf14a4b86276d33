// Printing through Qt: on a printer that the desktop knows, or into a PDF file.
#pragma once

#include <memory>
#include <string>

#include <QFont>
#include <QPageLayout>
#include <QPrinter>

#include "base/dialogs.h"

namespace kestrel {

// The font of every printout.
QFont printFont();

PageLayout toPageLayout(const QPageLayout& layout);

// Begins a document on the printer as it is set up; `printer` must outlive the job. A PDF is
// written whole or not at all. Faults: Printer where the printer cannot be drawn on.
std::unique_ptr<PrintJob> beginPrintJob(QPrinter& printer, const std::string& documentName);

}  // namespace kestrel

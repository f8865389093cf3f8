#ifndef TESTS_DOCS_FORMATSPAGE_H
#define TESTS_DOCS_FORMATSPAGE_H

#include <QtCore/QByteArray>

/// docs/file-formats.md.
QByteArray formatsPage();
/// The part of the page under this heading; empty when there is none.
QByteArray section(const QByteArray &title);
/// The one fenced block of the section.
QByteArray sample(const QByteArray &title);

#endif

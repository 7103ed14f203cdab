// One text of the program in another language, for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QTranslator>

namespace testsupport {

/// Translates one text of one class while it lives.
class OneTranslation : public QTranslator {
public:
    OneTranslation(const char* className, const char* original, const char* translated)
        : contextName(className), source(original), translation(translated) {
        QCoreApplication::installTranslator(this);
    }

    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* sourceText, const char* /*disambiguation*/,
                      int /*n*/) const override {
        const bool isTheOne =
            qstrcmp(context, contextName) == 0 && qstrcmp(sourceText, source) == 0;
        return isTheOne ? QString::fromUtf8(translation) : QString();
    }

private:
    const char* contextName;
    const char* source;
    const char* translation;
};

} // namespace testsupport

// A class's signals and slots by its meta-object, for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaMethod>
#include <QStringList>

namespace testsupport {

/// Returns a class's own methods in the order of their indices, as "signal name(type parameter)";
/// methods that are not public or return a value are marked.
inline QStringList methodsOf(const QMetaObject& metaObject) {
    QStringList methods;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        QStringList parameters;
        for (int p = 0; p < method.parameterCount(); ++p)
            parameters.append(
                (method.parameterTypes().at(p) + ' ' + method.parameterNames().at(p)).trimmed());
        methods.append(QStringLiteral("%1%2%3 %4(%5)")
                           .arg(method.access() == QMetaMethod::Public ? "" : "hidden ",
                                method.returnType() == QMetaType::Void ? "" : "returning ",
                                method.methodType() == QMetaMethod::Signal ? "signal" : "slot",
                                QString::fromLatin1(method.name()), parameters.join(", ")));
    }
    return methods;
}

} // namespace testsupport

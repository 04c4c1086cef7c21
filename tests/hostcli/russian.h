#pragma once

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

/// As long as it lives, the program's texts are in Russian.
class Russian
{
public:
    Russian()
    {
        EXPECT_TRUE(translator.load(QStringLiteral(RUSSIAN)));
        QCoreApplication::installTranslator(&translator);
    }
    ~Russian() { QCoreApplication::removeTranslator(&translator); }
    Q_DISABLE_COPY_MOVE(Russian)

private:
    QTranslator translator;
};

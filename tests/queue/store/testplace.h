#pragma once

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

/// A folder in memory, where waiting for the disk costs nothing; on the disk where there is none.
[[nodiscard]] QString folderTemplate();

/// The kinds of databases that stores are tested on.
enum class PlaceKind
{
    Sqlite,
    Postgres,
};

/// Those that this machine has.
[[nodiscard]] std::vector<PlaceKind> placeKinds();
[[nodiscard]] std::string placeKindName(const testing::TestParamInfo<PlaceKind>& info);

/// An empty place for a store: a file in a folder of its own, or a service whose schema is empty.
class TestPlace
{
public:
    explicit TestPlace(PlaceKind kind);

    [[nodiscard]] QString place() const { return name; }

private:
    std::optional<QTemporaryDir> folder;
    QString name;
};

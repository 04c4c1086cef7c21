#include "tests/queue/power/disk.h"

#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

namespace {

using namespace power;
using Kind = Request::Kind;

constexpr qsizetype page = 4096;

class DiskAfterACut : public testing::Test
{
protected:
    void write(qsizetype offset, char letter, int file = 1)
    {
        disk.take({.kind = Kind::Write, .file = file, .offset = offset, .bytes = QByteArray(page, letter)});
    }

    void sync(int file = 1) { disk.take({.kind = Kind::Sync, .file = file}); }
    void syncFolder() { disk.take({.kind = Kind::SyncFolder}); }

    void create(const QByteArray& name, int file)
    {
        disk.take({.kind = Kind::Create, .file = file, .name = name});
    }

    // All that is found in some cut.
    std::set<Disk::Files> found(Remains remains)
    {
        std::set<Disk::Files> all;
        for (unsigned seed = 0; seed < 200; ++seed) {
            Chance chance(seed);
            all.insert(disk.afterCut(remains, chance));
        }
        return all;
    }

    static QByteArray pages(const char* letters)
    {
        QByteArray content;
        for (const char* letter = letters; *letter != '\0'; ++letter)
            content += QByteArray(page, *letter);
        return content;
    }

    using Found = std::set<Disk::Files>;
    Disk disk;
};

TEST_F(DiskAfterACut, HasNoFileWhoseNameWasNotSynced)
{
    create("a", 1);
    write(0, 'x');
    sync();
    EXPECT_EQ(found(Remains::Nothing), Found{{}});
    EXPECT_EQ(found(Remains::Everything), (Found{{{"a", pages("x")}}}));
    syncFolder();
    EXPECT_EQ(found(Remains::Nothing), (Found{{{"a", pages("x")}}}));
}

TEST_F(DiskAfterACut, MayHaveARemovedFileStill)
{
    create("a", 1);
    write(0, 'x');
    sync();
    syncFolder();
    disk.take({.kind = Kind::Delete, .file = 1, .name = "a"});
    create("a", 2);
    EXPECT_EQ(found(Remains::Nothing), (Found{{{"a", pages("x")}}}));
    EXPECT_EQ(found(Remains::Any), (Found{{}, {{"a", ""}}, {{"a", pages("x")}}}));
    syncFolder();
    EXPECT_EQ(found(Remains::Any), (Found{{{"a", ""}}}));
}

TEST_F(DiskAfterACut, HasAnyOfWhatWasNotSynced)
{
    create("a", 1);
    write(0, 'x');
    write(page, 'x');
    sync();
    syncFolder();
    write(0, 'y');
    write(page, 'y');
    EXPECT_EQ(found(Remains::Nothing), (Found{{{"a", pages("xx")}}}));
    const Found any = found(Remains::Any);
    for (const char* content : {"xx", "yx", "xy", "yy"})
        EXPECT_TRUE(any.contains({{"a", pages(content)}})) << content;
}

TEST_F(DiskAfterACut, HasPartsOfWrites)
{
    create("a", 1);
    write(0, 'x');
    sync();
    syncFolder();
    write(0, 'y');
    bool hasGarbage = false;
    bool isHalved = false;
    for (const Disk::Files& files : found(Remains::LastInPart)) {
        const QByteArray content = files.at("a");
        ASSERT_EQ(content.size(), page);
        const bool isPure = content.count('x') + content.count('y') == page;
        hasGarbage = hasGarbage || !isPure;
        isHalved = isHalved || (isPure && content.startsWith('y') && content.endsWith('x'));
        EXPECT_TRUE(!isPure || content.count('x') % 512 == 0);
    }
    EXPECT_TRUE(hasGarbage);
    EXPECT_TRUE(isHalved);
}

// SQLite relies on it.
TEST_F(DiskAfterACut, HasNoDamageBesideAWrite)
{
    create("a", 1);
    write(0, 'x');
    write(page, 'x');
    sync();
    syncFolder();
    write(100, 'y');
    for (const Disk::Files& files : found(Remains::Any)) {
        EXPECT_EQ(files.at("a").first(100), QByteArray(100, 'x'));
        EXPECT_EQ(files.at("a").sliced(100 + page), QByteArray(page - 100, 'x'));
    }
}

TEST_F(DiskAfterACut, KeepsTheOrderOrNone)
{
    create("a", 1);
    create("b", 2);
    syncFolder();
    write(0, 'x', 1);
    write(0, 'x', 2);
    const auto hasOnlyTheSecond = [&](Remains remains) {
        return found(remains).contains({{"a", ""}, {"b", pages("x")}});
    };
    EXPECT_FALSE(hasOnlyTheSecond(Remains::UpToOne));
    EXPECT_TRUE(hasOnlyTheSecond(Remains::SomeFiles));
    EXPECT_TRUE(hasOnlyTheSecond(Remains::Any));
}

TEST_F(DiskAfterACut, HasAnyOrNoneOfWhatWasShared)
{
    disk.take({.kind = Kind::Share, .name = "a", .bytes = "x"});
    disk.take({.kind = Kind::Share, .name = "a", .bytes = "y"});
    EXPECT_EQ(found(Remains::Nothing), (Found{{}, {{"a", "x"}}, {{"a", "y"}}}));
}

TEST_F(DiskAfterACut, MayNotHaveBeenTruncated)
{
    create("a", 1);
    write(0, 'x');
    sync();
    syncFolder();
    disk.take({.kind = Kind::Truncate, .file = 1, .offset = 0});
    EXPECT_EQ(found(Remains::Any), (Found{{{"a", ""}}, {{"a", pages("x")}}}));
    sync();
    EXPECT_EQ(found(Remains::Any), (Found{{{"a", ""}}}));
}

} // namespace

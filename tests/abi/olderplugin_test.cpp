#include "host/transport/restclient.h"
#include "tests/abi/olderplugin.h"
#include "tests/support/wire/rawserver.h"

#include <QLibrary>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

using namespace Qt::Literals::StringLiterals;

namespace {

// Each block on the heap is preceded by its size, which malloc() alone would round up.
constexpr std::size_t room = alignof(std::max_align_t);

std::size_t sizeOfBlock(const void* block)
{
    return *reinterpret_cast<const std::size_t*>(static_cast<const char*>(block) - room);
}

} // namespace

void* operator new(std::size_t size)
{
    void* block = std::malloc(room + size);
    if (!block)
        throw std::bad_alloc();
    *static_cast<std::size_t*>(block) = size;
    return static_cast<char*>(block) + room;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
try {
    return operator new(size);
} catch (const std::bad_alloc&) {
    return nullptr;
}

void operator delete(void* block) noexcept
{
    if (block)
        std::free(static_cast<char*>(block) - room);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    operator delete(block);
}

namespace {

TEST(OlderPlugin, UsesAClientOfTodaysSize)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, R"({"token":"T"})"); });
    QLibrary library(QStringLiteral(OLDER_PLUGIN));
    const auto useClient = reinterpret_cast<UseClient>(library.resolve("useClient"));
    ASSERT_NE(useClient, nullptr) << library.errorString().toStdString();
    std::size_t allocated = 0;
    OlderPlugin plugin;
    plugin.url = QUrl(QString::fromStdString(server.url()));
    plugin.whileAlive = [&](const void* client) { allocated = sizeOfBlock(client); };
    useClient(plugin);
    EXPECT_LT(plugin.sizeOfClient, sizeof(RestClient));
    EXPECT_EQ(allocated, sizeof(RestClient));
    EXPECT_EQ(plugin.reply.toMap().value(u"token"_s).toString(), u"T"_s);
    EXPECT_EQ(server.requests().size(), 1U);
}

} // namespace

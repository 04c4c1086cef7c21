#pragma once

#include <QUrl>
#include <QVariant>

#include <cstddef>
#include <functional>

/// What the test and the plugin that was built against an older host/ tell each other.
struct OlderPlugin
{
    /// What the plugin takes for the size of a RestClient.
    std::size_t sizeOfClient = 0;
    /// Called with the plugin's client while it lives.
    std::function<void(const void* client)> whileAlive;
    /// Where the client posts to, and what it gets.
    QUrl url;
    QVariant reply;
};

/// The plugin's function "useClient": makes a client, posts with it and lets it go.
using UseClient = void (*)(OlderPlugin& plugin);

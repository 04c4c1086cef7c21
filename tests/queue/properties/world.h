#pragma once

#include "tests/queue/properties/deeds.h"

#include <memory>

/// The store and the model side by side. Three workers on two registers do the same in both, and die now and
/// then: their connection and their locks vanish before one of the statements, or after the last one before
/// anybody has heard of it. On a server, half of these deaths are the server's doing: it ends the session of
/// a worker that lives on.
class World
{
public:
    explicit World(const QString& usedPlace);

    /// Does these steps in a store with a few new receipts. Throws where store and model differ.
    void live(const std::vector<Step>& steps);

    /// How often which answer was given, and what else happened, in all lives.
    std::map<QString, int> tally;

private:
    static constexpr std::array addresses{"shop_1", "shop_1", "shop_2"};
    static constexpr std::size_t workers = addresses.size();

    void clear();
    void take(const Step& step);
    [[nodiscard]] Turn turnOf(const Step& step);
    [[nodiscard]] QString attempt(const Deed& deed, Turn& turn);
    void kill(std::size_t who);
    void revive(std::size_t who, const Step& step);
    void enter(std::size_t who);
    [[nodiscard]] Model content() { return Model::of(observer, numbers); }

    QString place;
    queue::Store observer;
    queue::WorkerLocks locks;
    std::array<qint64, Model::registers> numbers{};
    std::array<Fuse, workers> fuses;
    std::array<std::unique_ptr<Actor>, workers> actors;
    // Sessions of the server.
    std::array<qint64, workers> sessions{};
    Model model;
    // The last worker that was enrolled.
    qint64 highest = 0;
    // What readers have seen, by register.
    std::array<qint64, Model::registers> cursors{};
    std::array<int, Model::registers> read{};
    int serial = 0;
    bool isWhole = false;
};

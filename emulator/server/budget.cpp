#include "emulator/server/budget.h"

#include <algorithm>

namespace emulator {

namespace {

// Every connection takes about this much. The limit of connections bounds it, so it counts as nothing:
// closing idle connections would hardly free memory.
constexpr std::size_t uncounted = 16 * 1024;

} // namespace

Budget::Account::Account(Budget& usedBudget, Peer address)
    : budget(usedBudget)
    , peer(address)
    , open(budget.admit(address))
{
    if (!open)
        return;
    place = budget.accounts.insert(budget.accounts.end(), this);
    ++budget.all.connections;
    ++budget.peers[peer].connections;
}

Budget::Account::~Account()
{
    closer = nullptr;
    close();
}

void Budget::Account::close()
{
    if (!open)
        return;
    hold(0);
    open = false;
    budget.accounts.erase(place);
    --budget.all.connections;
    if (--budget.peers[peer].connections == 0)
        budget.peers.erase(peer);
    if (closer)
        closer();
}

void Budget::Account::progress()
{
    if (open)
        budget.accounts.splice(budget.accounts.end(), budget.accounts, place);
}

void Budget::Account::hold(std::size_t bytes)
{
    if (!open)
        return;
    const std::size_t counted = bytes > uncounted ? bytes - uncounted : 0;
    const bool more = counted > held;
    Usage& ofPeer = budget.peers[peer];
    ofPeer.memory += counted - held;
    budget.all.memory += counted - held;
    held = counted;
    if (more)
        budget.makeRoomInMemory(*this);
}

bool Budget::closeStalest()
{
    return closeFirst([](const Account&) { return true; });
}

bool Budget::admit(Peer peer)
{
    const auto ofPeer = peers.find(peer);
    if (ofPeer != peers.end() && ofPeer->second.connections >= limits.connectionsOfPeer)
        return closeFirst([peer](const Account& account) { return account.peer == peer; });
    return all.connections < limits.connections || closeStalest();
}

void Budget::makeRoomInMemory(const Account& forWhom)
{
    const auto helps = [&forWhom](
                           const Account& account) { return account.held > 0 && &account != &forWhom; };
    const auto ofPeer = [&](const Account& account) {
        return helps(account) && account.peer == forWhom.peer;
    };
    while (peers[forWhom.peer].memory > limits.memoryOfPeer && closeFirst(ofPeer)) {
    }
    while (all.memory > limits.memory && closeFirst(helps)) {
    }
}

bool Budget::closeFirst(const std::function<bool(const Account&)>& agrees)
{
    const auto found =
        std::ranges::find_if(accounts, [&](const Account* one) { return !one->busy && agrees(*one); });
    if (found == accounts.end())
        return false;
    (*found)->close();
    return true;
}

} // namespace emulator

#pragma once

struct MoneyCounters
{
};

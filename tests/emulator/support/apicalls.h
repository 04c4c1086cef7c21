#pragma once

#include "tests/emulator/support/running.h"

#include <string>
#include <vector>

/// A running emulator with a token, and shorthands for calls of its API.
class ApiCalls : public RunningEmulator
{
protected:
    ApiCalls()
    {
        start();
        takeToken();
    }

    /// Returns the uuid.
    std::string registerReceipt(const std::string& id, const std::string& name = "Молоко 3,2 %")
    {
        emulator::Json body = goodReceipt(id);
        body["receipt"]["items"][0]["name"] = name;
        return sell(body).json()["uuid"];
    }

    /// External ids of the documents that a query lists.
    std::vector<std::string> ids(const std::string& query)
    {
        std::vector<std::string> all;
        const emulator::Json list = get("/_emulator/documents" + query).json();
        for (const emulator::Json& document : list["documents"])
            all.push_back(document["external_id"]);
        return all;
    }

    /// What `expect` answers, which must have that HTTP status.
    emulator::Json verdict(const std::string& query, int status)
    {
        const auto answer = get("/_emulator/expect?" + query);
        EXPECT_EQ(answer.status, status) << query << " " << answer.body;
        return answer.json();
    }
};

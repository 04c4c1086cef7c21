#pragma once

struct EFrDriver
{
    enum class PaymentMethod
    {
    };
    enum class PaymentObject
    {
    };
    enum class RequisiteTypes
    {
    };
    enum class RebootMode
    {
    };
    enum class FontTypes
    {
    };
};

#include "tests/frbase/operations.h"

#include <iostream>

// Writes the document to the standard output.
int main()
{
    std::cout << operationsDocument().toStdString();
}

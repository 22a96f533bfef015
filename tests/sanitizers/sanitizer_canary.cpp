// Does on purpose what the sanitizers are there to stop; its status is 0 unless one of them does.

#include <climits>
#include <cstdio>
#include <string_view>
#include <vector>

int main(int argc, char **argv)
{
    const std::string_view fault = argc > 1 ? argv[1] : "";
    // Volatile, so that no compiler sees through any of it.
    int *volatile memory = new int[2] {1, INT_MAX};
    int result = 0;
    if (fault == "address")
        result = memory[argc];
    else if (fault == "undefined")
        result = memory[1] + argc;
    else if (fault == "index")
        result = std::vector<int>(std::size_t(argc))[std::size_t(memory[1])];
    if (fault != "leak")
        delete[] memory;
    memory = nullptr;
    std::printf("%d\n", result);
    return 0;
}

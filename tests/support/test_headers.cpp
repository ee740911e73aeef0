// Carries the headers that are compiled once for the tests.

int main() {}

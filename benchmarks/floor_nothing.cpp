// The least that any program costs.
int main() {}

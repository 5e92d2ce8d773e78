// Calls a function that is declared and defined nowhere.
namespace harbor {
void forgotten(int value);
}

int main() {
  harbor::forgotten(1);
}

#include <stdio.h>
#include <string.h>

#include <ox.h>

int main(void) {
    ox_object *unit = ox_unit_from_string("UNIT[\"Foot_US\",0.3048006096012192]");
    char text[OX_OBJSTRING_SIZE];
    ox_unit_to_string(unit, text);
    ox_unit_del(unit);
    puts(text);
    return strcmp(text, "UNIT[\"Foot_US\",0.3048006096012192]") == 0 ? 0 : 1;
}

// Where GNUstep's headers look for the blocks runtime.
#include <Block.h>

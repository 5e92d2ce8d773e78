// Uses what newer systems have, where they are.

#import <ServiceManagement/ServiceManagement.h>

void enable(NSString* identifier) {
  if (@available(macOS 13.0, *))
    [[SMAppService loginItemServiceWithIdentifier:identifier] registerAndReturnError:nil];
}

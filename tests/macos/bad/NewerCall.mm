// Uses what the oldest supported system does not have.

#import <ServiceManagement/ServiceManagement.h>

void enable(NSString* identifier) {
  [[SMAppService loginItemServiceWithIdentifier:identifier] registerAndReturnError:nil];
}

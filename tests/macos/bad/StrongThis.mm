// A monitor holds a C++ object that may be gone.

#import <AppKit/AppKit.h>

class Ring {
 public:
  void follow();
  void start() {
    monitor_ = [NSEvent addGlobalMonitorForEventsMatchingMask:NSEventMaskMouseMoved
                                                      handler:^(NSEvent* event) {
                                                        this->follow();
                                                      }];
  }

 private:
  id monitor_;
};

// A queue holds a C++ object that may be gone, through a data member.

#import <AppKit/AppKit.h>

class Counter {
 public:
  void start() {
    dispatch_async(dispatch_get_main_queue(), ^{
      ++count_;
    });
  }

 private:
  int count_ = 0;
};

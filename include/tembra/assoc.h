// Start here: the public line of libTembraAssoc. Apart are <tembra/rules.h>, how ZigBee devices are classified, and
// <tembra/service.h>, what the library tells about itself.
#ifndef TEMBRA_ASSOC_H
#define TEMBRA_ASSOC_H

#include <tembra/association.h>  // the service object: calling order, results, threads
#include <tembra/endpoints.h>    // where the daemons are
#include <tembra/events.h>       // what the callback hears
#include <tembra/globals.h>      // library-wide state
#include <tembra/hue.h>          // bridge ids and MAC texts
#include <tembra/names.h>        // display texts of Z-Wave numbers
#include <tembra/platform.h>     // what the router provides
#include <tembra/records.h>      // what travels
#include <tembra/version.h>      // of the headers and of the library
#include <tembra/vocabulary.h>   // the numbers

#endif

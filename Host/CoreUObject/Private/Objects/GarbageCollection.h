#pragma once

class FReferenceCollector;

/** Has those that are no objects report their references. */
void VisitReferencers(FReferenceCollector& Collector);

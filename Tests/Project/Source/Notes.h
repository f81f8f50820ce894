#pragma once

// one
// two
// three

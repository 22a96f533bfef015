#include "demo/clinic.h"

namespace corvane::demo {

Clinic makeClinic(int patientCount)
{
    Clinic clinic;
    registerPatients(clinic, patientCount);
    bookAppointments(clinic);
    billAppointments(clinic);
    return clinic;
}

} // namespace corvane::demo
